object DeliveriesForm: TDeliveriesForm
  Left = 260
  Top = 180
  BorderStyle = bsDialog
  Caption = 'Deliveries'
  ClientHeight = 253
  ClientWidth = 385
  Color = clBtnFace
  Font.Charset = EASTEUROPE_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'Tahoma'
  Font.Style = []
  OldCreateOrder = False
  PixelsPerInch = 96
  TextHeight = 13
  object lblTotal: TLabel
    Left = 8
    Top = 232
    Width = 24
    Height = 13
    Caption = '0.0 t'
  end
  object Grid: TDBGrid
    Left = 8
    Top = 8
    Width = 369
    Height = 217
    DataSource = srcDays
    ReadOnly = True
    TabOrder = 0
    TitleFont.Charset = EASTEUROPE_CHARSET
    TitleFont.Color = clWindowText
    TitleFont.Height = -11
    TitleFont.Name = 'Tahoma'
    TitleFont.Style = []
  end
    object qryDays: TKVAQuery
    Connection = MainData.PressDB
    Transaction = MainData.ReadTr
    AfterOpen = qryDaysAfterOpen
    CachedUpdates = False
    SQL.Strings = (
            'select D.ARRIVED, S.NAME, sum(D.NET_KG) as KG'
            'from DELIVERIES D'
            '  join SORTS S on S.ID = D.SORT_ID'
            
              'where D.GROWER_ID = :GROWER_ID and D.ARRIVED >= '#39'1999-08-01' +
              #39' and D.ARRIVED < '#39'1999-12-01'#39
            'group by D.ARRIVED, S.NAME')
    Left = 32
    Top = 64
    ParamData = <
            item
              DataType = ftInteger
              Name = 'GROWER_ID'
              ParamType = ptInput
            end>
    AutoCommit = True
  end
object srcDays: TDataSource
    DataSet = qryDays
    Left = 72
    Top = 64
  end
    object qryCarts: TKVAQuery
    Connection = MainData.PressDB
    Transaction = MainData.ReadTr
    CachedUpdates = False
    MasterSource = srcDays
    SQL.Strings = (
            'select CART_NO, GROSS_KG, TARE_KG from CARTS'
            'where ARRIVED = :ARRIVED')
    Left = 32
    Top = 112
    ParamData = <
            item
              DataType = ftUnknown
              Name = 'ARRIVED'
              ParamType = ptUnknown
            end>
    AutoCommit = True
  end
object srcCarts: TDataSource
    DataSet = qryCarts
    Left = 72
    Top = 112
  end
end
