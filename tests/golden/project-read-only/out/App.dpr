program App;

uses
  A in 'A.pas',
  B in 'B.pas',
  C in 'C.pas';

begin
end.
