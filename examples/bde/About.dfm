object AboutBox: TAboutBox
  Left = 243
  Top = 108
  BorderStyle = bsDialog
  Caption = 'About'
  ClientHeight = 165
  ClientWidth = 298
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = True
  Position = poScreenCenter
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object Panel1: TPanel
    Left = 8
    Top = 8
    Width = 281
    Height = 113
    BevelInner = bvRaised
    BevelOuter = bvLowered
    TabOrder = 0
    object ProductName: TLabel
      Left = 24
      Top = 16
      Width = 63
      Height = 13
      Caption = 'Lending desk'
      IsControl = True
    end
    object Version: TLabel
      Left = 24
      Top = 40
      Width = 54
      Height = 13
      Caption = 'Version 2.4'
      IsControl = True
    end
    object Engine: TLabel
      Left = 24
      Top = 72
      Width = 3
      Height = 13
    end
  end
  object OKButton: TButton
    Left = 111
    Top = 132
    Width = 75
    Height = 25
    Caption = 'OK'
    Default = True
    ModalResult = 1
    TabOrder = 1
  end
end
