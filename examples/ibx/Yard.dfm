object YardForm: TYardForm
  Left = 200
  Top = 120
  Width = 392
  Height = 233
  Caption = 'Yard'
  Color = clBtnFace
  Font.Charset = EASTEUROPE_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'Tahoma'
  Font.Style = []
  OldCreateOrder = False
  OnCreate = FormCreate
  OnDestroy = FormDestroy
  PixelsPerInch = 96
  TextHeight = 13
  object lblWeight: TLabel
    Left = 16
    Top = 16
    Width = 200
    Height = 48
    Alignment = taRightJustify
    AutoSize = False
    Caption = '0.0 kg'
    Font.Charset = EASTEUROPE_CHARSET
    Font.Color = clNavy
    Font.Height = -37
    Font.Name = 'Tahoma'
    Font.Style = [fsBold]
    ParentFont = False
  end
  object cbSort: TDBLookupComboBox
    Left = 16
    Top = 80
    Width = 145
    Height = 21
    KeyField = 'ID'
    ListField = 'NAME'
    ListSource = MainData.srcSorts
    TabOrder = 0
  end
  object edGrower: TEdit
    Left = 176
    Top = 80
    Width = 65
    Height = 21
    TabOrder = 1
  end
  object btTare: TButton
    Left = 264
    Top = 16
    Width = 105
    Height = 25
    Caption = '&Tare'
    TabOrder = 2
    OnClick = btTareClick
  end
  object btBook: TBitBtn
    Left = 264
    Top = 48
    Width = 105
    Height = 53
    Caption = '&Book'
    Enabled = False
    TabOrder = 3
    OnClick = btBookClick
    Kind = bkYes
  end
  object btGrowers: TButton
    Left = 16
    Top = 160
    Width = 105
    Height = 25
    Caption = '&Growers...'
    TabOrder = 4
    OnClick = btGrowersClick
  end
  object btBatches: TButton
    Left = 136
    Top = 160
    Width = 105
    Height = 25
    Caption = 'B&atches...'
    TabOrder = 5
    OnClick = btBatchesClick
  end
  object btUpkeep: TButton
    Left = 264
    Top = 160
    Width = 105
    Height = 25
    Caption = '&Upkeep...'
    TabOrder = 6
    OnClick = btUpkeepClick
  end
  object Ticker: TTimer
    Enabled = False
    Interval = 250
    OnTimer = TickerTimer
    Left = 336
    Top = 112
  end
end
