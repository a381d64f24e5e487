object DM: TDM
  object A: tquery
    DatabaseName = 'X'
    DataSource = S
    ParamData = <>
    Left = 1
  end
  object B: TwwQuery
    DataSource = S
    ParamData = <>
    params.strings = ()
  end
  object C: TTable
    DataSource = S
    IndexFieldNames = 'N'
    MasterSource = S
  end
  object D: TwwTable
    IndexFieldNames = 'N'
    INDEXFIELDNAMES = 'M'
    indexName = 'I'
  end
  object E: TStoredProc
    Database = DB
    DefaultDatabase = DB
    ParamData = <>
  end
  object K: TwwStoredProc
    StoredProcName = 'P'
  end
  object F: TQuery
    AutoCommit = False
    SQL.Text.More = 'dotted'
    sql.Strings = ()
    Transaction = T
  end
  object G: TBatchMove
    DatabaseName = 'X'
    Params.Strings = ()
    IndexFieldNames = 'N'
    Anything = True
  end
  object H: TDatabase
    DatabaseName = 'X'
    Connected = True
    KeepConnection = False
  end
  object I: TUpdateSQL
    DatabaseName = 'X'
    InsertSQL.Strings = ()
    SelectSQL.Strings = ()
  end
  object J: TIBQuery
    Database = DB
  end
end
