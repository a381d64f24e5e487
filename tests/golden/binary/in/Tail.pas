unit Tail;

interface

implementation

{$R *.DFM}

end.
