unit Overdue;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, Grids, Wwdbigrd, Wwdbgrid, Db, DBTables, Quorel, KVA, Velmar, KVAError, Wwquery, Period;

type
  TOverdueForm = class(TForm)
    Choice: TPeriodFrame;
    Grid: TwwDBGrid;
    btRun: TButton;
    QOverdue: TKVAQuery;
    SOverdue: TDataSource;
    TPostage: TKVATable;
    procedure btRunClick(Sender: TObject);
    procedure FormCreate(Sender: TObject);
  end;

implementation

{$R *.DFM}

procedure TOverdueForm.FormCreate(Sender: TObject);
begin
  Choice.LastMonth;
end;

procedure TOverdueForm.btRunClick(Sender: TObject);
begin
  QOverdue.Close;
  QOverdue.ParamByName('FROM_DATE').AsDate := Choice.FromDate;
  QOverdue.ParamByName('TO_DATE').AsDate := Choice.ToDate;
  QOverdue.Open;
  if QOverdue.IsEmpty then
    ShowMessage('Nothing is overdue. Not one TwwQuery row!');
end;

end.
