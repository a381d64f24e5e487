unit Over;

interface

implementation

{$R *.dfm}

end.
