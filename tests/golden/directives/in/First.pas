unit First;

interface

implementation

{$R My_Form.dfm}

end.
