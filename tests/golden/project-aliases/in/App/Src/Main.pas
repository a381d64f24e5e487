unit Main;

interface

implementation

{$R *.dfm}

end.
