unit Val;

interface

implementation

{$R *.dfm}

end.
