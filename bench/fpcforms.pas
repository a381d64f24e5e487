{ The two conversions of forms by the run-time library of Free Pascal, for comparison.

    fpcforms text|binary INPUT OUTPUT REPEATS

  converts INPUT to its text or binary form in memory, REPEATS times, writes the outcome to OUTPUT, and prints
  the seconds of the fastest time. }
{$mode objfpc}{$H+}
program fpcforms;

uses
  Classes, SysUtils, BaseUnix, Linux;

function Seconds: Double;
var
  Time: TTimeSpec;
begin
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, @Time);
  Result := Time.tv_sec + Time.tv_nsec * 1E-9;
end;

var
  Input, Output: TMemoryStream;
  Repeats: Integer;
  Start, Best: Double;
begin
  Input := TMemoryStream.Create;
  Output := TMemoryStream.Create;
  Input.LoadFromFile(ParamStr(2));
  Best := 1E9;
  for Repeats := 1 to StrToInt(ParamStr(4)) do
  begin
    Input.Position := 0;
    Output.Position := 0;
    Start := Seconds;
    if ParamStr(1) = 'text' then
      ObjectBinaryToText(Input, Output)
    else
      ObjectTextToBinary(Input, Output);
    if Seconds - Start < Best then
      Best := Seconds - Start;
  end;
  Output.Size := Output.Position;
  Output.SaveToFile(ParamStr(3));
  WriteLn(Best:0:6);
end.
