unit Alone;

interface

implementation

{$R *.dfm}

end.
