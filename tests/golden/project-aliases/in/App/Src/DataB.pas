unit DataB;

interface

implementation

{$R *.dfm}

end.
