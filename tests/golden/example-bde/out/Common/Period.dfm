object PeriodFrame: TPeriodFrame
  Left = 0
  Top = 0
  Width = 384
  Height = 40
  TabOrder = 0
  object lblDash: TLabel
    Left = 112
    Top = 12
    Width = 9
    Height = 13
    Caption = 'to'
  end
  object edFrom: TEdit
    Left = 8
    Top = 8
    Width = 89
    Height = 21
    TabOrder = 0
  end
  object edTo: TEdit
    Left = 136
    Top = 8
    Width = 89
    Height = 21
    TabOrder = 1
  end
    object QQuarters: TKVAQuery
    Connection = DM.LendingDB
    SQL.Strings = (
            'select QUARTER, FROM_DATE, TO_DATE from QUARTERS')
    Left = 320
    Top = 4
    AutoCommit = True
  end
end
