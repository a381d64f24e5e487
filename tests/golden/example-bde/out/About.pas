unit About;

interface

uses Windows, SysUtils, Classes, Graphics, Forms, Controls, StdCtrls,
  Buttons, ExtCtrls, DBTables, Quorel, KVA, Velmar, KVAError;

type
  TAboutBox = class(TForm)
    Panel1: TPanel;
    ProductName: TLabel;
    Version: TLabel;
    Engine: TLabel;
    OKButton: TButton;
    procedure FormCreate(Sender: TObject);
  end;

var
  AboutBox: TAboutBox;

implementation

{$R *.DFM}

procedure TAboutBox.FormCreate(Sender: TObject);
begin
  Engine.Caption := Format('%d databases in this session',
    [Session.DatabaseCount]);
end;

end.
