unit Fourth;

interface

implementation

{$RESOURCE *.nfm}

end.
