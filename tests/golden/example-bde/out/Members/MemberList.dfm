object MemberListForm: TMemberListForm
  Left = 214
  Top = 131
  Width = 476
  Height = 340
  Caption = 'Members'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  FormStyle = fsMDIChild
  OldCreateOrder = False
  Visible = True
  OnClose = FormClose
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object Grid: TDBGrid
    Left = 0
    Top = 37
    Width = 468
    Height = 276
    Align = alClient
    DataSource = SList
    Options = [dgTitles, dgIndicator, dgColumnResize, dgColLines, dgRowLines, dgTabs]
    TabOrder = 0
    TitleFont.Charset = DEFAULT_CHARSET
    TitleFont.Color = clWindowText
    TitleFont.Height = -11
    TitleFont.Name = 'MS Sans Serif'
    TitleFont.Style = [fsBold]
    OnDblClick = GridDblClick
    Columns = <
      item
        Expanded = False
        FieldName = 'MEMBER_NO'
        Title.Caption = 'No.'
        Width = 48
        Visible = True
      end
      item
        Expanded = False
        FieldName = 'NAME'
        Visible = True
      end
      item
        Expanded = False
        FieldName = 'TOWN'
        Visible = True
      end
      item
        Expanded = False
        FieldName = 'LOANS'
        Visible = True
      end>
  end
  object TopPanel: TPanel
    Left = 0
    Top = 0
    Width = 468
    Height = 37
    Align = alTop
    BevelOuter = bvNone
    TabOrder = 1
    object lblFind: TLabel
      Left = 8
      Top = 12
      Width = 65
      Height = 13
      Caption = '&Name begins:'
      FocusControl = edFind
    end
    object edFind: TEdit
      Left = 80
      Top = 8
      Width = 145
      Height = 21
      TabOrder = 0
      OnChange = edFindChange
    end
    object Navigator: TDBNavigator
      Left = 240
      Top = 6
      Width = 216
      Height = 25
      DataSource = SList
      VisibleButtons = [nbFirst, nbPrior, nbNext, nbLast, nbInsert, nbDelete, nbPost, nbCancel, nbRefresh]
      TabOrder = 1
    end
  end
    object QList: TKVAQuery
    CachedUpdates = True
    AfterPost = QListAfterPost
    Connection = DM.LendingDB
    SQL.Strings = (
            'select M.MEMBER_NO, M.NAME, M.TOWN,'
            '  (select count(*) from LOANS L'
            '   where L.MEMBER_NO = M.MEMBER_NO'
            '     and L.RETURNED is null) as LOANS'
            'from MEMBERS M'
            'where M.NAME like :PATTERN'
            'order by M.NAME, M.TOWN')
    UpdateObject = UList
    Left = 24
    Top = 88
    ParamData = <
            item
              DataType = ftString
              Name = 'PATTERN'
              ParamType = ptInput
            end>
    AutoCommit = True
    object QListMEMBER_NO: TIntegerField
      DisplayLabel = 'No.'
      FieldName = 'MEMBER_NO'
      Origin = 'LENDINGDB.MEMBERS.MEMBER_NO'
      ReadOnly = True
    end
    object QListNAME: TStringField
      DisplayLabel = 'Name'
      DisplayWidth = 32
      FieldName = 'NAME'
      Origin = 'LENDINGDB.MEMBERS.NAME'
      Size = 40
    end
    object QListTOWN: TStringField
      DisplayLabel = 'Town'
      FieldName = 'TOWN'
      Origin = 'LENDINGDB.MEMBERS.TOWN'
      Size = 30
    end
    object QListLOANS: TIntegerField
      DisplayLabel = 'Out'
      FieldName = 'LOANS'
      ReadOnly = True
    end
  end
object SList: TDataSource
    DataSet = QList
    Left = 64
    Top = 88
  end
    object UList: TKVAUpdateSQL
    ModifySQL.Strings = (
            'update MEMBERS set NAME = :NAME, TOWN = :TOWN'
            'where MEMBER_NO = :OLD_MEMBER_NO')
    InsertSQL.Strings = (
            'insert into MEMBERS (NAME, TOWN)'
            'values (:NAME, :TOWN)')
    DeleteSQL.Strings = (
            'delete from MEMBERS where MEMBER_NO = :OLD_MEMBER_NO')
    Left = 104
    Top = 88
  end
end
