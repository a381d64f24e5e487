program PressHouse;

uses
  Forms,
  Data in 'Data.pas' {MainData: TDataModule},
  Yard in 'Yard.pas' {YardForm},
  Growers in 'Growers\Growers.pas' {GrowersForm},
  Deliveries in 'Growers\Deliveries.pas' {DeliveriesForm},
  Batches in 'Press\Batches.pas' {BatchesForm},
  Upkeep in 'Admin\Upkeep.pas' {UpkeepForm},
  Scale in 'Shared\Scale.pas';

{$R *.RES}

begin
  Application.Initialize;
  Application.Title := 'Press house';
  Application.CreateForm(TMainData, MainData);
  Application.CreateForm(TYardForm, YardForm);
  Application.CreateForm(TGrowersForm, GrowersForm);
  Application.CreateForm(TBatchesForm, BatchesForm);
  Application.Run;
end.
