object MainForm: TMainForm
  Left = 192
  Top = 107
  Width = 544
  Height = 375
  Caption = 'Lending desk'
  Color = clAppWorkSpace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  FormStyle = fsMDIForm
  Menu = MainMenu
  OldCreateOrder = False
  Position = poScreenCenter
  WindowState = wsMaximized
  PixelsPerInch = 96
  TextHeight = 13
  object Bar: TStatusBar
    Left = 0
    Top = 310
    Width = 536
    Height = 19
    Panels = <
      item
        Width = 180
      end
      item
        Width = 140
      end
      item
        Width = 50
      end>
    SimplePanel = False
  end
  object ToolPanel: TPanel
    Left = 0
    Top = 0
    Width = 536
    Height = 33
    Align = alTop
    BevelOuter = bvNone
    TabOrder = 1
    object btLoans: TSpeedButton
      Left = 4
      Top = 4
      Width = 89
      Height = 25
      Caption = '&Loans'
      Glyph.Data = {
        F6000000424DF600000000000000760000002800000010000000100000000100
        0400000000008000000000000000000000001000000000000000000000008000
        00000080000080800000000080008000800000808000C0C0C00080808000FF00
        000000FF0000FFFF00000000FF00FF00FF0000FFFF00FFFFFF00000000000000
        0000000000000000000000000000000000000000000000000000004444444444
        4400077777777777777007FFFF7FF7FFFF7007FFFF7FF7FFFF7007F88F7FF7F8
        8F7007FFFF7FF7FFFF7007F88F7FF7F88F7007FFFF7FF7FFFF7007F88F7777F8
        8F7007FFFF7007FFFF7000777700007777000000000000000000}
      OnClick = miLoansClick
    end
  end
  object MainMenu: TMainMenu
    Left = 24
    Top = 56
    object miFile: TMenuItem
      Caption = '&File'
      object miImport: TMenuItem
        Caption = '&Import catalogue...'
        OnClick = miImportClick
      end
      object N1: TMenuItem
        Caption = '-'
      end
      object miExit: TMenuItem
        Caption = 'E&xit'
        ShortCut = 32883
        OnClick = miExitClick
      end
    end
    object miDesk: TMenuItem
      Caption = '&Desk'
      object miLoans: TMenuItem
        Caption = '&Loans'
        ShortCut = 116
        OnClick = miLoansClick
      end
      object miMembers: TMenuItem
        Caption = '&Members'
        ShortCut = 117
        OnClick = miMembersClick
      end
    end
    object miReports: TMenuItem
      Caption = '&Reports'
      object miOverdue: TMenuItem
        Caption = '&Overdue loans...'
        OnClick = miOverdueClick
      end
    end
    object miHelp: TMenuItem
      Caption = '&Help'
      object miAbout: TMenuItem
        Caption = '&About...'
        OnClick = miAboutClick
      end
    end
  end
  object Clock: TTimer
    Interval = 20000
    OnTimer = ClockTimer
    Left = 64
    Top = 56
  end
end
