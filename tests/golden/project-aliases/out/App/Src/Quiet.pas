unit Quiet;

interface

implementation

{$R *.dfm}

end.
