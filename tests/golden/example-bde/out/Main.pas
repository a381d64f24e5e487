unit Main;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Menus, ComCtrls, StdCtrls, Buttons, ExtCtrls, Db;

type
  TMainForm = class(TForm)
    MainMenu: TMainMenu;
    miFile: TMenuItem;
    miImport: TMenuItem;
    miExit: TMenuItem;
    miDesk: TMenuItem;
    miLoans: TMenuItem;
    miMembers: TMenuItem;
    miReports: TMenuItem;
    miOverdue: TMenuItem;
    miHelp: TMenuItem;
    miAbout: TMenuItem;
    Bar: TStatusBar;
    ToolPanel: TPanel;
    btLoans: TSpeedButton;
    Clock: TTimer;
    procedure miImportClick(Sender: TObject);
    procedure miExitClick(Sender: TObject);
    procedure miLoansClick(Sender: TObject);
    procedure miMembersClick(Sender: TObject);
    procedure miOverdueClick(Sender: TObject);
    procedure miAboutClick(Sender: TObject);
    procedure ClockTimer(Sender: TObject);
  end;

var
  MainForm: TMainForm;

implementation

uses DataMod, LoanDesk, MemberList, Overdue, Import, About;

{$R *.DFM}

procedure TMainForm.miImportClick(Sender: TObject);
begin
  with TImportForm.Create(Self) do
  try
    ShowModal;
  finally
    Free;
  end;
end;

procedure TMainForm.miExitClick(Sender: TObject);
begin
  Close;
end;

procedure TMainForm.miLoansClick(Sender: TObject);
begin
  if LoanDeskForm = nil then
    LoanDeskForm := TLoanDeskForm.Create(Application);
  LoanDeskForm.Show;
end;

procedure TMainForm.miMembersClick(Sender: TObject);
begin
  if MemberListForm = nil then
    MemberListForm := TMemberListForm.Create(Application);
  MemberListForm.Show;
end;

procedure TMainForm.miOverdueClick(Sender: TObject);
begin
  with TOverdueForm.Create(Self) do
  try
    ShowModal;
  finally
    Free;
  end;
end;

procedure TMainForm.miAboutClick(Sender: TObject);
begin
  AboutBox := TAboutBox.Create(Self);
  try
    AboutBox.ShowModal;
  finally
    FreeAndNil(AboutBox);
  end;
end;

procedure TMainForm.ClockTimer(Sender: TObject);
const
  Door: array[Boolean] of string = ('closed', 'open');
begin
  Bar.Panels[0].Text := FormatDateTime('dddd, d mmmm, hh:nn', Now);
  Bar.Panels[1].Text := 'Database ' + Door[DM.LendingDB.Connected];
end;

end.
