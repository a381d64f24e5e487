unit Beside;

interface

implementation

{$R *.dfm}

end.
