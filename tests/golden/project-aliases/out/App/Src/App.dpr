program App;

uses
  Forms,
  DataA in 'DataA.pas' {DMA: TDataModule},
  DataB in 'DataB.pas' {DMB: TDataModule},
  Quiet in 'Quiet.pas' {QuietForm},
  Main in 'Main.pas' {MainForm},
  Far in '..\..\Shared\Far.pas' {FarForm},
  Plain in 'Plain.pas';

var
  Query: TQuery; { the program's own source stays as it is }

begin
end.
