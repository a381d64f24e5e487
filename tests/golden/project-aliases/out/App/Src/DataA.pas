unit DataA;

interface

implementation

{$R *.dfm}

end.
