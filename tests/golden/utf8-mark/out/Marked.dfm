object Form1: TForm1
  Caption = 'Győr'
    object T: TKVATable
    TableName = 'Čísla'
    AutoCommit = True
  end
end
