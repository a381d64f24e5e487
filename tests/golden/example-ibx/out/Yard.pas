unit Yard;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, ExtCtrls, DBCtrls, Buttons, Scale;

type
  TYardForm = class(TForm)
    lblWeight: TLabel;
    cbSort: TDBLookupComboBox;
    edGrower: TEdit;
    btTare: TButton;
    btBook: TBitBtn;
    btGrowers: TButton;
    btBatches: TButton;
    btUpkeep: TButton;
    Ticker: TTimer;
    procedure FormCreate(Sender: TObject);
    procedure FormDestroy(Sender: TObject);
    procedure TickerTimer(Sender: TObject);
    procedure btTareClick(Sender: TObject);
    procedure btBookClick(Sender: TObject);
    procedure btGrowersClick(Sender: TObject);
    procedure btBatchesClick(Sender: TObject);
    procedure btUpkeepClick(Sender: TObject);
  private
    FScale: TScale;
    FTare: Double;
  end;

var
  YardForm: TYardForm;

implementation

uses Data, Growers, Batches, Upkeep;

{$R *.DFM}

procedure TYardForm.FormCreate(Sender: TObject);
begin
  FScale := TScale.Create('COM2');
  Ticker.Enabled := True;
end;

procedure TYardForm.FormDestroy(Sender: TObject);
begin
  Ticker.Enabled := False;
  FScale.Free;
end;

procedure TYardForm.TickerTimer(Sender: TObject);
begin
  lblWeight.Caption := Format('%.1f kg', [FScale.Weight - FTare]);
  btBook.Enabled := FScale.Steady and (FScale.Weight > FTare);
end;

procedure TYardForm.btTareClick(Sender: TObject);
begin
  FTare := FScale.Weight;
end;

procedure TYardForm.btBookClick(Sender: TObject);
var
  No: Integer;
begin
  No := MainData.BookWeight(StrToInt(edGrower.Text), cbSort.KeyValue,
    FScale.Weight, FTare);
  Caption := Format('Delivery %d is booked', [No]);
  FTare := 0;
end;

procedure TYardForm.btGrowersClick(Sender: TObject);
begin
  GrowersForm.Show;
end;

procedure TYardForm.btBatchesClick(Sender: TObject);
begin
  BatchesForm.Show;
end;

procedure TYardForm.btUpkeepClick(Sender: TObject);
begin
  with TUpkeepForm.Create(Self) do
  try
    ShowModal;
  finally
    Free;
  end;
end;

end.
