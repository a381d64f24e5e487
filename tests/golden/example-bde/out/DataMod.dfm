object DM: TDM
  OldCreateOrder = False
  OnCreate = DMCreate
  OnDestroy = DMDestroy
  Left = 246
  Top = 130
  Height = 306
  Width = 412
    object LendingDB: TKVAConnection
    LoginPrompt = False
    Username = 'DESK'
    Password = 'ladder'
    Server = 'karrow:/data/lending.gdb'
    OnLogin = LendingDBLogin
    Left = 40
    Top = 16
  end
  object TMembers: TKVATable
    BeforePost = TMembersBeforePost
    OnPostError = TMembersPostError
    CachedUpdates = True
    Connection = DM.LendingDB
    DetailFields = 'NAME'
    TableName = 'MEMBERS'
    UpdateObject = UMembers
    Left = 120
    Top = 16
    AutoCommit = True
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
    object TShelves: TKVATable
    Connection = DM.LendingDB
    ReadOnly = True
    TableName = 'SHELVES'
    Left = 120
    Top = 72
    AutoCommit = True
  end
  object PLend: TKVAStoredProc
    Connection = DM.LendingDB
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
    AutoCommit = True
  end
  object PTakeBack: TKVAStoredProc
    Connection = DM.LendingDB
    StoredProcName = 'TAKE_BACK'
    Left = 120
    Top = 136
    ParamData = <
            item
              DataType = ftInteger
              Name = 'COPY_NO'
              ParamType = ptInput
            end>
    AutoCommit = True
  end
  object UMembers: TKVAUpdateSQL
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
  object QNextNo: TKVAQuery
    Connection = DM.LendingDB
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
    AutoCommit = True
  end
end
