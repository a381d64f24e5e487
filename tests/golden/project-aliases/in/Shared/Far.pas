unit Far;

interface

implementation

{$R *.dfm}

end.
