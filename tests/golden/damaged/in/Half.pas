unit Half;

interface

implementation

{$R *.dfm}

end.
