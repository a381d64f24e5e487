unit Nest;

interface

implementation

{$R *.dfm}

end.
