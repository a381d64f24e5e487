object Form1: TForm1
  Left = 10
  Caption = 'TQuery'
  object Database1: TDatabase
    AliasName = 'MAIN'
    DatabaseName = 'MainDB'
    LoginPrompt = False
    Params.Strings = (
      'SERVER NAME=srv:/d/main.gdb'
      'USER NAME=SYS'
      'PASSWORD=key')
    SessionName = 'Default'
    Left = 40
    Top = 16
  end
  object Query1: TQuery
    DatabaseName = 'MainDB'
    DataSource = Source1
    RequestLive = True
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
  end
  object Source1: TDataSource
    Left = 4
  end
end
