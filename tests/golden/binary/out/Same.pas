unit Same;

interface

implementation

{$R *.DFM}

end.
