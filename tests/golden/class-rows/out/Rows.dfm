object DM: TDM
    object A: TKVAQuery
    ParamData = <>
    Left = 1
    AutoCommit = True
  end
  object B: TKVAQuery
    ParamData = <>
    params.strings = ()
    AutoCommit = True
  end
  object C: TKVATable
    DetailFields = 'N'
    MasterSource = S
    AutoCommit = True
  end
  object D: TKVATable
    IndexFieldNames = 'N'
    INDEXFIELDNAMES = 'M'
    AutoCommit = True
  end
  object E: TKVAStoredProc
    Connection = DB
    DefaultConnection = DB
    ParamData = <>
    AutoCommit = True
  end
  object K: TKVAStoredProc
    StoredProcName = 'P'
    AutoCommit = True
  end
  object F: TKVAQuery
    AutoCommit = False
    SQL.Text.More = 'dotted'
    sql.Strings = ()
    Transaction = T
    AutoCommit = True
  end
  object G: THXBatchMove
    Params.Strings = ()
    IndexFieldNames = 'N'
    Anything = True
  end
  object H: TKVAConnection
    Connected = True
  end
  object I: TKVAUpdateSQL
    InsertSQL.Strings = ()
  end
object J: TIBQuery
    Database = DB
  end
end
