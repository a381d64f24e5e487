object DM: TDM
  OldCreateOrder = False
  OnCreate = DMCreate
  OnDestroy = DMDestroy
  Left = 246
  Top = 130
  Height = 306
  Width = 412
  object LendingDB: TDatabase
    AliasName = 'LENDING'
    DatabaseName = 'LendingDB'
    LoginPrompt = False
    Params.Strings = (
      'SERVER NAME=karrow:/data/lending.gdb'
      'USER NAME=DESK'
      'OPEN MODE=READ/WRITE'
      'LANGDRIVER='
      'PASSWORD=ladder')
    SessionName = 'Default'
    TransIsolation = tiDirtyRead
    OnLogin = LendingDBLogin
    Left = 40
    Top = 16
  end
  object TMembers: TTable
    BeforePost = TMembersBeforePost
    OnPostError = TMembersPostError
    CachedUpdates = True
    DatabaseName = 'LendingDB'
    IndexFieldNames = 'NAME'
    TableName = 'MEMBERS'
    UpdateMode = upWhereKeyOnly
    UpdateObject = UMembers
    Left = 120
    Top = 16
    object TMembersMEMBER_NO: TIntegerField
      FieldName = 'MEMBER_NO'
      Required = True
    end
    object TMembersNAME: TStringField
      DisplayLabel = 'Name'
      FieldName = 'NAME'
      Required = True
      Size = 40
    end
    object TMembersTOWN: TStringField
      DisplayLabel = 'Town'
      FieldName = 'TOWN'
      Size = 30
    end
    object TMembersJOINED: TDateField
      FieldName = 'JOINED'
      DisplayFormat = 'dd.mm.yyyy'
    end
  end
  object SMembers: TDataSource
    DataSet = TMembers
    Left = 184
    Top = 16
  end
  object TShelves: TTable
    DatabaseName = 'LendingDB'
    ReadOnly = True
    TableName = 'SHELVES'
    Left = 120
    Top = 72
  end
  object PLend: TStoredProc
    DatabaseName = 'LendingDB'
    StoredProcName = 'LEND_COPY'
    Left = 40
    Top = 136
    ParamData = <
      item
        DataType = ftInteger
        Name = 'MEMBER_NO'
        ParamType = ptInput
      end
      item
        DataType = ftInteger
        Name = 'COPY_NO'
        ParamType = ptInput
      end
      item
        DataType = ftDateTime
        Name = 'DUE'
        ParamType = ptOutput
      end>
  end
  object PTakeBack: TStoredProc
    DatabaseName = 'LendingDB'
    StoredProcName = 'TAKE_BACK'
    Left = 120
    Top = 136
    ParamData = <
      item
        DataType = ftInteger
        Name = 'COPY_NO'
        ParamType = ptInput
      end>
  end
  object UMembers: TUpdateSQL
    ModifySQL.Strings = (
      'update MEMBERS'
      'set'
      '  NAME = :NAME,'
      '  TOWN = :TOWN'
      'where'
      '  MEMBER_NO = :OLD_MEMBER_NO')
    InsertSQL.Strings = (
      'insert into MEMBERS'
      '  (MEMBER_NO, NAME, TOWN, JOINED)'
      'values'
      '  (:MEMBER_NO, :NAME, :TOWN, :JOINED)')
    DeleteSQL.Strings = (
      'delete from MEMBERS'
      'where'
      '  MEMBER_NO = :OLD_MEMBER_NO')
    Left = 184
    Top = 72
  end
  object QNextNo: TQuery
    DatabaseName = 'LendingDB'
    SQL.Strings = (
      'select LAST_NO from COUNTERS where COUNTER = :COUNTER')
    Left = 40
    Top = 72
    ParamData = <
      item
        DataType = ftString
        Name = 'COUNTER'
        ParamType = ptInput
      end>
  end
end
