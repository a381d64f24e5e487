object MainData: TMainData
  OldCreateOrder = False
  OnCreate = MainDataCreate
  OnDestroy = MainDataDestroy
  Left = 320
  Top = 187
  Height = 240
  Width = 337
    object PressDB: TKVAConnection
    Database = 'karrow:/data/press.gdb'
    Username = 'YARD'
    Password = 'pomace'
    LoginPrompt = False
    BeforeConnect = PressDBBeforeConnect
    Left = 32
    Top = 16
  end
  object ReadTr: TKVATransaction
    DefaultConnection = PressDB
    Left = 88
    Top = 16
  end
  object WriteTr: TKVATransaction
    DefaultConnection = PressDB
    DefaultCloseAction = TARollback
    Left = 144
    Top = 16
  end
  object tblSorts: TKVATable
    Connection = PressDB
    Transaction = ReadTr
    CachedUpdates = False
    DetailFields = 'NAME'
    ReadOnly = True
    TableName = 'SORTS'
    Left = 32
    Top = 80
    AutoCommit = True
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
    object procWeigh: TKVAStoredProc
    Connection = PressDB
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
    AutoCommit = True
  end
  object sqlCounter: TKVASQL
    Connection = PressDB
    ParamCheck = True
    SQL.Strings = (
            'select gen_id(BATCH_NO, 1) from RDB$DATABASE')
    Transaction = ReadTr
    Left = 208
    Top = 80
    AutoCommit = True
  end
end
