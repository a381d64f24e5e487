unit Bin;

interface

implementation

{$R *.DFM}

end.
