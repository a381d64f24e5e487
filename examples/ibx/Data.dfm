object MainData: TMainData
  OldCreateOrder = False
  OnCreate = MainDataCreate
  OnDestroy = MainDataDestroy
  Left = 320
  Top = 187
  Height = 240
  Width = 337
  object PressDB: TIBDatabase
    DatabaseName = 'karrow:/data/press.gdb'
    Params.Strings = (
      'user_name=YARD'
      'password=pomace'
      'lc_ctype=WIN1250'
      'sql_role_name=SCALES')
    LoginPrompt = False
    DefaultTransaction = ReadTr
    IdleTimer = 0
    SQLDialect = 3
    TraceFlags = []
    BeforeConnect = PressDBBeforeConnect
    Left = 32
    Top = 16
  end
  object ReadTr: TIBTransaction
    Active = False
    DefaultDatabase = PressDB
    Params.Strings = (
      'read_committed'
      'rec_version'
      'nowait')
    AutoStopAction = saNone
    Left = 88
    Top = 16
  end
  object WriteTr: TIBTransaction
    Active = False
    DefaultDatabase = PressDB
    DefaultAction = TARollback
    AutoStopAction = saNone
    Left = 144
    Top = 16
  end
  object tblSorts: TIBTable
    Database = PressDB
    Transaction = ReadTr
    BufferChunks = 1000
    CachedUpdates = False
    FieldDefs = <
      item
        Name = 'ID'
        Attributes = [faRequired]
        DataType = ftInteger
      end
      item
        Name = 'NAME'
        DataType = ftString
        Size = 24
      end>
    IndexFieldNames = 'NAME'
    ReadOnly = True
    StoreDefs = True
    TableName = 'SORTS'
    Left = 32
    Top = 80
    object tblSortsID: TIntegerField
      FieldName = 'ID'
      Required = True
    end
    object tblSortsNAME: TIBStringField
      DisplayLabel = 'Sort'
      FieldName = 'NAME'
      Size = 24
    end
  end
  object srcSorts: TDataSource
    DataSet = tblSorts
    Left = 88
    Top = 80
  end
  object procWeigh: TIBStoredProc
    Database = PressDB
    Transaction = WriteTr
    StoredProcName = 'WEIGH_IN'
    Left = 144
    Top = 80
    ParamData = <
      item
        DataType = ftInteger
        Name = 'DELIVERY_ID'
        ParamType = ptOutput
      end
      item
        DataType = ftInteger
        Name = 'GROWER_ID'
        ParamType = ptInput
      end
      item
        DataType = ftInteger
        Name = 'SORT_ID'
        ParamType = ptInput
      end
      item
        DataType = ftFloat
        Name = 'GROSS_KG'
        ParamType = ptInput
      end
      item
        DataType = ftFloat
        Name = 'TARE_KG'
        ParamType = ptInput
      end>
  end
  object sqlCounter: TIBSQL
    Database = PressDB
    ParamCheck = True
    SQL.Strings = (
      'select gen_id(BATCH_NO, 1) from RDB$DATABASE')
    Transaction = ReadTr
    Left = 208
    Top = 80
  end
end
