unit Inh;

interface

implementation

{$R *.dfm}

end.
