unit Import;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, ComCtrls, Db, DBTables, Quorel, KVA, Velmar, KVAError;

type
  TImportForm = class(TForm)
    edFile: TEdit;
    btGo: TButton;
    Progress: TProgressBar;
    TSource: TKVATable;
    TTarget: TKVATable;
    Mover: THXBatchMove;
    procedure btGoClick(Sender: TObject);
  private
    procedure Report(Moved, Refused: Longint);
  end;

implementation

{$R *.DFM}

procedure TImportForm.btGoClick(Sender: TObject);
var
  Sources: array of TKVATable;
  I: Integer;
begin
  SetLength(Sources, 1);
  Sources[0] := TSource;
  for I := 0 to High(Sources) do
  begin
    Sources[I].DatabaseName := ExtractFilePath(edFile.Text);
    Sources[I].TableName := ExtractFileName(edFile.Text);
  end;
  try
    Mover.Execute;
    Report(Mover.MovedCount, Mover.ProblemCount);
  except
    on E: EKVAError do
      ShowMessage('The catalogue could not be read: ' + E.Message);
  end;
end;

{ THXBatchMove counts what it moved; what it refused is in the table PROBLEMS. }
procedure TImportForm.Report(Moved, Refused: Longint);
begin
  if Refused = 0 then
    ShowMessage(Format('%d titles.', [Moved]))
  else
    ShowMessage(Format('%d titles, %d refused.', [Moved, Refused]));
end;

end.
