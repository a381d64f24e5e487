unit Nuls;

interface

implementation

{$R *.dfm}

end.
