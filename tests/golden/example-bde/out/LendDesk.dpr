program LendDesk;

{ The lending desk of a town library. Started as a single form over two
  TTable components; the queries came when the second branch opened. }

uses
  Forms,
  DataMod in 'DataMod.pas' {DM: TDataModule},
  Main in 'Main.pas' {MainForm},
  About in 'About.pas' {AboutBox},
  MemberList in 'Members\MemberList.pas' {MemberListForm},
  MemberCard in 'Members\MemberCard.pas' {MemberCardForm},
  LoanDesk in 'Loans\LoanDesk.pas' {LoanDeskForm},
  Overdue in 'Reports\Overdue.pas' {OverdueForm},
  Period in 'Common\Period.pas' {PeriodFrame: TFrame},
  Texts in 'Common\Texts.pas',
  Branch in 'Common\Branch.pas' {BranchForm},
  Import in 'Import\Import.pas' {ImportForm};

{$R *.RES}

begin
  Application.Initialize;
  Application.Title := 'Lending desk';
  Application.CreateForm(TDM, DM);
  Application.CreateForm(TMainForm, MainForm);
  Application.Run;
end.
