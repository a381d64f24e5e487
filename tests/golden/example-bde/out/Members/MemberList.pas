unit MemberList;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Grids, DBGrids, StdCtrls, ExtCtrls, DBCtrls, Db, DBTables, Quorel, KVA, Velmar, KVAError;

type
  TMemberListForm = class(TForm)
    Grid: TDBGrid;
    TopPanel: TPanel;
    edFind: TEdit;
    lblFind: TLabel;
    Navigator: TDBNavigator;
    QList: TKVAQuery;
    QListMEMBER_NO: TIntegerField;
    QListNAME: TStringField;
    QListTOWN: TStringField;
    QListLOANS: TIntegerField;
    SList: TDataSource;
    UList: TKVAUpdateSQL;
    procedure FormCreate(Sender: TObject);
    procedure FormClose(Sender: TObject; var Action: TCloseAction);
    procedure edFindChange(Sender: TObject);
    procedure GridDblClick(Sender: TObject);
    procedure QListAfterPost(DataSet: TDataSet);
  private
    procedure Refill;
  end;

var
  MemberListForm: TMemberListForm;

implementation

uses DataMod, MemberCard;

{$R *.DFM}

procedure TMemberListForm.FormCreate(Sender: TObject);
begin
  Refill;
end;

procedure TMemberListForm.FormClose(Sender: TObject;
  var Action: TCloseAction);
begin
  QList.Close;
  Action := caFree;
  MemberListForm := nil;
end;

procedure TMemberListForm.Refill;
begin
  QList.DisableControls;
  try
    QList.Close;
    QList.ParamByName('PATTERN').AsString := edFind.Text + '%';
    QList.Open;
  finally
    QList.EnableControls;
  end;
end;

procedure TMemberListForm.edFindChange(Sender: TObject);
begin
  // two letters at least: a TKVAQuery over all members takes its time
  if Length(edFind.Text) <> 1 then
    Refill;
end;

procedure TMemberListForm.GridDblClick(Sender: TObject);
begin
  if ShowMemberCard(QListMEMBER_NO.AsInteger) then
    Refill;
end;

procedure TMemberListForm.QListAfterPost(DataSet: TDataSet);
begin
  (* TKVAUpdateSQL does the work, the TKVAConnection only gathers the commits *)
  DM.LendingDB.ApplyUpdates([QList]);
end;

end.
