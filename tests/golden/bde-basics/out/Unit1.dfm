object Form1: TForm1
  Left = 10
  Caption = 'TQuery'
    object Database1: TKVAConnection
    LoginPrompt = False
    Username = 'SYS'
    Password = 'key'
    Server = 'srv:/d/main.gdb'
    Left = 40
    Top = 16
  end
  object Query1: TKVAQuery
    MasterSource = Source1
    SQL.Strings = (
            'select *'
            'from T')
    Left = 8
    Top = 8
    ParamData = <
            item
              DataType = ftString
              Name = 'A'
            end>
    AutoCommit = True
  end
object Source1: TDataSource
    Left = 4
  end
end
