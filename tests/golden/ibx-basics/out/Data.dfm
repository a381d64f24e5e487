object DM: TDM
    object DB: TKVAConnection
    Database = 'srv:/d/press.gdb'
    Username = 'YARD'
    Password = 'pomace'
    LoginPrompt = False
    Left = 8
  end
  object Tr: TKVATransaction
    DefaultConnection = DB
    DefaultCloseAction = TARollback
    Left = 48
  end
  object DS: TKVAQuery
    Connection = DB
    Transaction = Tr
    SQLDelete.Strings = (
            'delete')
    SQLInsert.Strings = (
            'insert')
    SQLRefresh.Strings = (
            'refresh')
    SQL.Strings = (
            'select')
    SQLUpdate.Strings = (
            'modify')
    MasterSource = Src
    DetailFields = 'ID'
    Left = 88
    AutoCommit = True
    object DSID: TIntegerField
      FieldName = 'ID'
    end
  end
  object Q: TKVAQuery
    Connection = DB
    MasterSource = Src
    DetailFields = 'ID'
    SQL.Strings = (
            'select 1')
    ParamData = <
            item
              Name = 'ID'
            end>
    AutoCommit = True
  end
  object T: TKVATable
    Connection = DB
    DetailFields = 'NAME'
    TableName = 'SORTS'
    AutoCommit = True
  end
  object P: TKVAStoredProc
    Connection = DB
    StoredProcName = 'WEIGH'
    Left = 1
    AutoCommit = True
  end
  object S: TKVASQL
    Connection = DB
    ParamCheck = False
    SQL.Strings = (
            'select 2')
    Transaction = Tr
    AutoCommit = True
  end
  object X: TKVAScript
    Connection = DB
    Transaction = Tr
    Delimiter = '^'
    SQL.Strings = (
            'commit^')
    AutoCommit = True
  end
  object U: TKVAUpdateSQL
    ModifySQL.Strings = (
            'modify')
    Left = 2
  end
object Mover: TBatchMove
    Left = 3
  end
end
