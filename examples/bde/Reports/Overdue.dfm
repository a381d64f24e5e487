object OverdueForm: TOverdueForm
  Left = 222
  Top = 140
  Width = 520
  Height = 346
  Caption = 'Overdue loans'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = False
  Position = poMainFormCenter
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object btRun: TButton
    Left = 424
    Top = 12
    Width = 75
    Height = 25
    Caption = '&Run'
    Default = True
    TabOrder = 0
    OnClick = btRunClick
  end
  object Grid: TwwDBGrid
    Left = 8
    Top = 56
    Width = 497
    Height = 249
    DataSource = SOverdue
    TabOrder = 1
  end
  inline Choice: TPeriodFrame
    Left = 8
    Top = 8
    Width = 401
    TabOrder = 2
    inherited edFrom: TEdit
      Width = 97
    end
    inherited QQuarters: TQuery
      Left = 344
    end
  end
  object QOverdue: TwwQuery
    DatabaseName = 'LendingDB'
    SQL.Strings = (
      'select M.NAME, M.TOWN, L.DUE, B.TITLE'
      'from LOANS L'
      '  join MEMBERS M on M.MEMBER_NO = L.MEMBER_NO'
      '  join COPIES C on C.COPY_NO = L.COPY_NO'
      '  join BOOKS B on B.BOOK_NO = C.BOOK_NO'
      'where L.RETURNED is null'
      '  and L.DUE between :FROM_DATE and :TO_DATE'
      'order by M.NAME')
    ValidateWithMask = True
    Left = 32
    Top = 96
    ParamData = <
      item
        DataType = ftDate
        Name = 'FROM_DATE'
        ParamType = ptInput
      end
      item
        DataType = ftDate
        Name = 'TO_DATE'
        ParamType = ptInput
      end>
  end
  object SOverdue: TDataSource
    DataSet = QOverdue
    Left = 72
    Top = 96
  end
  object TPostage: TwwTable
    DatabaseName = 'LendingDB'
    TableName = 'POSTAGE'
    SyncSQLByRange = True
    NarrowSearch = False
    ValidateWithMask = True
    Left = 112
    Top = 96
  end
end
