unit Branch;

// Филиал в Вышкове. Запросы идут через TQuery, соединение - через TDatabase
// из модуля данных.

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, Db, DBTables;

type
  TBranchForm = class(TForm)
    lblBranch: TLabel;
    cbBranch: TComboBox;
    QBranches: TQuery;
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
  { сначала постоянные отделы, потом то, что вернёт QBranches: TQuery }
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
