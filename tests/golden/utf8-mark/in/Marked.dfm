object Form1: TForm1
  Caption = 'Győr'
  object T: TTable
    TableName = 'Čísla'
  end
end
