unit Branch;

// Филиал в Вышкове. Запросы идут через TKVAQuery, соединение - через TKVAConnection
// из модуля данных.

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, Db, DBTables, Quorel, KVA, Velmar, KVAError;

type
  TBranchForm = class(TForm)
    lblBranch: TLabel;
    cbBranch: TComboBox;
    QBranches: TKVAQuery;
    procedure FormCreate(Sender: TObject);
  end;

const
  BranchCaptions: array[0..2] of string =
    ('Главный зал', 'Читальня', 'Хранилище');

implementation

{$R *.DFM}

procedure TBranchForm.FormCreate(Sender: TObject);
var
  I: Integer;
begin
  { сначала постоянные отделы, потом то, что вернёт QBranches: TKVAQuery }
  for I := Low(BranchCaptions) to High(BranchCaptions) do
    cbBranch.Items.Add(BranchCaptions[I]);
  QBranches.Open;
  while not QBranches.EOF do
  begin
    cbBranch.Items.Add(QBranches.FieldByName('NAME').AsString);
    QBranches.Next;
  end;
  lblBranch.Caption := 'Отдел:';
end;

end.
