unit Lay;

interface

implementation

{$R *.dfm}

end.
