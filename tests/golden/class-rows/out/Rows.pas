unit Rows;

interface

implementation

{$R *.dfm}

end.
