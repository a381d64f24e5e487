object GrowersForm: TGrowersForm
  Left = 230
  Top = 150
  Width = 480
  Height = 320
  Caption = 'Growers'
  Color = clBtnFace
  Font.Charset = EASTEUROPE_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'Tahoma'
  Font.Style = []
  OldCreateOrder = False
  OnHide = FormHide
  OnShow = FormShow
  PixelsPerInch = 96
  TextHeight = 13
  object Grid: TDBGrid
    Left = 0
    Top = 0
    Width = 472
    Height = 252
    Align = alClient
    DataSource = srcGrowers
    TabOrder = 0
    TitleFont.Charset = EASTEUROPE_CHARSET
    TitleFont.Color = clWindowText
    TitleFont.Height = -11
    TitleFont.Name = 'Tahoma'
    TitleFont.Style = []
  end
  object Foot: TPanel
    Left = 0
    Top = 252
    Width = 472
    Height = 41
    Align = alBottom
    BevelOuter = bvNone
    TabOrder = 1
    object btDeliveries: TButton
      Left = 8
      Top = 8
      Width = 105
      Height = 25
      Caption = '&Deliveries...'
      TabOrder = 0
      OnClick = btDeliveriesClick
    end
  end
    object dsGrowers: TKVAQuery
    Connection = MainData.PressDB
    Transaction = MainData.WriteTr
    OnNewRecord = dsGrowersNewRecord
    CachedUpdates = False
    SQLDelete.Strings = (
            'delete from GROWERS'
            'where'
            '  ID = :OLD_ID')
    SQLInsert.Strings = (
            'insert into GROWERS'
            '  (ID, NAME, VILLAGE)'
            'values'
            '  (:ID, :NAME, :VILLAGE)')
    SQLRefresh.Strings = (
            'Select ID, NAME, VILLAGE'
            'from GROWERS'
            'where'
            '  ID = :ID')
    SQL.Strings = (
            'select ID, NAME, VILLAGE'
            'from GROWERS'
            'order by NAME')
    SQLUpdate.Strings = (
            'update GROWERS'
            'set'
            '  NAME = :NAME,'
            '  VILLAGE = :VILLAGE'
            'where'
            '  ID = :OLD_ID')
    Left = 24
    Top = 48
    AutoCommit = True
    object dsGrowersID: TIntegerField
      FieldName = 'ID'
      Required = True
      Visible = False
    end
    object dsGrowersNAME: TIBStringField
      DisplayLabel = 'Name'
      FieldName = 'NAME'
      Size = 48
    end
    object dsGrowersVILLAGE: TIBStringField
      DisplayLabel = 'Village'
      FieldName = 'VILLAGE'
      Size = 32
    end
  end
object srcGrowers: TDataSource
    DataSet = dsGrowers
    Left = 64
    Top = 48
  end
    object qrySums: TKVAQuery
    Connection = MainData.PressDB
    Transaction = MainData.ReadTr
    CachedUpdates = True
    MasterSource = srcGrowers
    SQL.Strings = (
            'select S.NAME, sum(D.NET_KG) as KG'
            'from DELIVERIES D join SORTS S on S.ID = D.SORT_ID'
            'where D.GROWER_ID = :ID'
            'group by S.NAME')
    UpdateObject = updSums
    Left = 24
    Top = 104
    ParamData = <
            item
              DataType = ftInteger
              Name = 'ID'
              ParamType = ptUnknown
              Size = 4
            end>
    AutoCommit = True
  end
  object updSums: TKVAUpdateSQL
    ModifySQL.Strings = (
            'update SEASON_SUMS set KG = :KG'
            'where GROWER_ID = :OLD_ID and SORT = :OLD_NAME')
    Left = 104
    Top = 104
  end
object srcSums: TDataSource
    DataSet = qrySums
    Left = 64
    Top = 104
  end
end
