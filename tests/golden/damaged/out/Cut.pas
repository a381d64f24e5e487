unit Cut;

interface

implementation

{$R *.dfm}

end.
