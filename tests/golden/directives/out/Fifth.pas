unit Fifth;

interface

implementation

{$R forms\Main.dfm} {$R 'Main.dfm'}

end.
