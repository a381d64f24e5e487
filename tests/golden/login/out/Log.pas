unit Log;

interface

implementation

{$R *.dfm}

end.
