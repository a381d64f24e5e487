unit Upkeep;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, Db, IBDatabase, IBScript, IBSQL;

type
  TUpkeepForm = class(TForm)
    Memo: TMemo;
    btRun: TButton;
    scrUpkeep: TKVAScript;
    sqlVersion: TKVASQL;
    trUpkeep: TKVATransaction;
    procedure btRunClick(Sender: TObject);
    procedure FormCreate(Sender: TObject);
  private
    function RunScript(Script: TKVAScript): Boolean;
  end;

implementation

uses Data;

{$R *.DFM}

procedure TUpkeepForm.FormCreate(Sender: TObject);
begin
  trUpkeep.StartTransaction;
  sqlVersion.ExecQuery;
  Caption := Format('Upkeep (schema %d)', [sqlVersion.Fields[0].AsInteger]);
  sqlVersion.Close;
  trUpkeep.Commit;
end;

function TUpkeepForm.RunScript(Script: TKVAScript): Boolean;
begin
  Result := False;
  try
    if Script.ValidateScript then
    begin
      Script.ExecuteScript;
      Result := True;
    end;
  except
    on E: Exception do
      Memo.Lines.Add('TIBScript: ' + E.Message);
  end;
end;

procedure TUpkeepForm.btRunClick(Sender: TObject);
begin
  if RunScript(scrUpkeep) then
    Memo.Lines.Add('Done.');
end;

end.
