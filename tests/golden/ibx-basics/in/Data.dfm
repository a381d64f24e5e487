object DM: TDM
  object DB: TIBDatabase
    DatabaseName = 'srv:/d/press.gdb'
    Params.Strings = (
      'password=pomace'
      'user_name=YARD'
      'server name=elsewhere'
      'lc_ctype=WIN1250')
    LoginPrompt = False
    DefaultTransaction = Tr
    Left = 8
  end
  object Tr: TIBTransaction
    Active = False
    DefaultDatabase = DB
    DefaultAction = TARollback
    Left = 48
  end
  object DS: TIBDataSet
    Database = DB
    Transaction = Tr
    BufferChunks = 1000
    DatabaseName = 'nobody'
    DeleteSQL.Strings = (
      'delete')
    InsertSQL.Strings = (
      'insert')
    RefreshSQL.Strings = (
      'refresh')
    SelectSQL.Strings = (
      'select')
    ModifySQL.Strings = (
      'modify')
    DataSource = Src
    IndexFieldNames = 'ID'
    Left = 88
    object DSID: TIntegerField
      FieldName = 'ID'
    end
  end
  object Q: TIBQuery
    Database = DB
    DataSource = Src
    IndexFieldNames = 'ID'
    SQL.Strings = (
      'select 1')
    ParamData = <
      item
        Name = 'ID'
      end>
  end
  object T: TIBTable
    Database = DB
    DataSource = Src
    IndexFieldNames = 'NAME'
    TableName = 'SORTS'
  end
  object P: TIBStoredProc
    Database = DB
    StoredProcName = 'WEIGH'
    Left = 1
  end
  object S: TIBSQL
    Database = DB
    ParamCheck = False
    SQL.Strings = (
      'select 2')
    Transaction = Tr
  end
  object X: TIBScript
    Database = DB
    Transaction = Tr
    Terminator = '^'
    Script.Strings = (
      'commit^')
  end
  object U: TIBUpdateSQL
    ModifySQL.Strings = (
      'modify')
    SelectSQL.Strings = (
      'select')
    Left = 2
  end
  object Mover: TBatchMove
    Left = 3
  end
end
