object UpkeepForm: TUpkeepForm
  Left = 280
  Top = 170
  BorderStyle = bsDialog
  Caption = 'Upkeep'
  ClientHeight = 193
  ClientWidth = 353
  Color = clBtnFace
  Font.Charset = EASTEUROPE_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'Tahoma'
  Font.Style = []
  OldCreateOrder = False
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object Memo: TMemo
    Left = 8
    Top = 8
    Width = 337
    Height = 145
    Lines.Strings = (
      'Runs the script of the season'#39's end:'
      'object Memo: TIBQuery is only a line of text here.')
    ReadOnly = True
    ScrollBars = ssVertical
    TabOrder = 0
  end
  object btRun: TButton
    Left = 136
    Top = 160
    Width = 75
    Height = 25
    Caption = '&Run'
    TabOrder = 1
    OnClick = btRunClick
  end
  object scrUpkeep: TIBScript
    Database = MainData.PressDB
    Transaction = trUpkeep
    Terminator = '^'
    Script.Strings = (
      'insert into SEASON_SUMS'
      '  select GROWER_ID, SORT_ID, sum(NET_KG)'
      '  from DELIVERIES group by GROWER_ID, SORT_ID^'
      ''
      'delete from CARTS^'
      ''
      'commit^')
    Left = 24
    Top = 88
  end
  object sqlVersion: TIBSQL
    Database = MainData.PressDB
    ParamCheck = False
    SQL.Strings = (
      'select max(VERSION) from SCHEMA_VERSION')
    Transaction = trUpkeep
    Left = 64
    Top = 88
  end
  object trUpkeep: TIBTransaction
    Active = False
    DefaultDatabase = MainData.PressDB
    DefaultAction = TACommit
    AutoStopAction = saNone
    Left = 104
    Top = 88
  end
end
