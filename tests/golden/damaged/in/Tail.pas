unit Tail;

interface

implementation

{$R *.dfm}

end.
