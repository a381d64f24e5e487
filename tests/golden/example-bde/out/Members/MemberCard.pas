unit MemberCard;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, Mask, DBCtrls, Db, DBTables, Quorel, KVA, Velmar, KVAError;

type
  TMemberCardForm = class(TForm)
    lblName: TLabel;
    lblTown: TLabel;
    edName: TDBEdit;
    edTown: TDBEdit;
    btSave: TButton;
    btCancel: TButton;
    QCard: TKVAQuery;
    SCard: TDataSource;
    procedure btSaveClick(Sender: TObject);
  private
    function Load(MemberNo: Integer): Boolean;
  end;

function ShowMemberCard(MemberNo: Integer): Boolean;

implementation

uses DataMod;

{$R *.DFM}

function ShowMemberCard(MemberNo: Integer): Boolean;
var
  Form: TMemberCardForm;
begin
  Form := TMemberCardForm.Create(Application);
  try
    Result := Form.Load(MemberNo) and (Form.ShowModal = mrOk);
  finally
    Form.Free;
  end;
end;

function TMemberCardForm.Load(MemberNo: Integer): Boolean;
begin
  QCard.ParamByName('NO').AsInteger := MemberNo;
  QCard.Open;
  Result := not QCard.IsEmpty;
end;

procedure TMemberCardForm.btSaveClick(Sender: TObject);
begin
  if QCard.State in dsEditModes then
    try
      QCard.Post;
    except
      on E: EKVAError do
      begin
        ShowMessage('The card was not saved: ' + E.Message);
        ModalResult := mrNone;
      end;
    end;
end;

end.
