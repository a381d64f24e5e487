object BranchForm: TBranchForm
  Left = 320
  Top = 204
  BorderStyle = bsDialog
  Caption = #1060#1080#1083#1080#1072#1083
  ClientHeight = 65
  ClientWidth = 257
  Color = clBtnFace
  Font.Charset = RUSSIAN_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = False
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object lblBranch: TLabel
    Left = 8
    Top = 12
    Width = 34
    Height = 13
    Caption = #1054#1090#1076#1077#1083':'
  end
  object cbBranch: TComboBox
    Left = 56
    Top = 8
    Width = 193
    Height = 21
    ItemHeight = 13
    TabOrder = 0
  end
    object QBranches: TKVAQuery
    Connection = DM.LendingDB
    Filter = 'TOWN = '#39#1042#1099#1096#1082#1086#1074#39
    Filtered = True
    SQL.Strings = (
            'select NAME, TOWN from BRANCHES')
    Left = 8
    Top = 32
    AutoCommit = True
  end
end
