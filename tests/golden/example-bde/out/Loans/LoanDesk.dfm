object LoanDeskForm: TLoanDeskForm
  Left = 196
  Top = 117
  Width = 560
  Height = 412
  Caption = 'Loans'
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
  object Split: TSplitter
    Left = 0
    Top = 170
    Width = 552
    Height = 3
    Cursor = crVSplit
    Align = alTop
  end
  object edScan: TEdit
    Left = 0
    Top = 0
    Width = 552
    Height = 21
    Align = alTop
    TabOrder = 0
    OnKeyPress = edScanKeyPress
  end
  object MembersGrid: TDBGrid
    Left = 0
    Top = 21
    Width = 552
    Height = 149
    Align = alTop
    DataSource = SMaster
    ReadOnly = True
    TabOrder = 1
    TitleFont.Charset = DEFAULT_CHARSET
    TitleFont.Color = clWindowText
    TitleFont.Height = -11
    TitleFont.Name = 'MS Sans Serif'
    TitleFont.Style = []
  end
  object LoansGrid: TDBGrid
    Left = 0
    Top = 173
    Width = 552
    Height = 212
    Align = alClient
    DataSource = SDetail
    ReadOnly = True
    TabOrder = 2
    TitleFont.Charset = DEFAULT_CHARSET
    TitleFont.Color = clWindowText
    TitleFont.Height = -11
    TitleFont.Name = 'MS Sans Serif'
    TitleFont.Style = []
    OnDrawColumnCell = LoansGridDrawColumnCell
  end
    object QMaster: TKVAQuery
    Connection = DM.LendingDB
    SQL.Strings = (
            'select MEMBER_NO, NAME'
            'from MEMBERS'
            'where BLOCKED is null'
            'order by NAME')
    Left = 24
    Top = 72
    AutoCommit = True
    object QMasterMEMBER_NO: TIntegerField
      FieldName = 'MEMBER_NO'
    end
    object QMasterNAME: TStringField
      FieldName = 'NAME'
      Size = 40
    end
  end
object SMaster: TDataSource
    DataSet = QMaster
    Left = 64
    Top = 72
  end
    object QDetail: TKVAQuery
    OnCalcFields = QDetailCalcFields
    Connection = DM.LendingDB
    MasterSource = SMaster
    SQL.Strings = (
            'select L.COPY_NO, B.TITLE, L.DUE'
            'from LOANS L'
            '  join COPIES C on C.COPY_NO = L.COPY_NO'
            '  join BOOKS B on B.BOOK_NO = C.BOOK_NO'
            'where L.MEMBER_NO = :MEMBER_NO'
            '  and L.RETURNED is null'
            
              '  and (L.LOST is null or L.LOST = '#39'N'#39') /* lost books have a lis' +
              't of their own, see the report of the month */'
            'order by L.DUE')
    Left = 24
    Top = 224
    ParamData = <
            item
              DataType = ftInteger
              Name = 'MEMBER_NO'
              ParamType = ptUnknown
            end>
    AutoCommit = True
    object QDetailCOPY_NO: TIntegerField
      DisplayLabel = 'Copy'
      FieldName = 'COPY_NO'
    end
    object QDetailTITLE: TStringField
      DisplayLabel = 'Title'
      DisplayWidth = 44
      FieldName = 'TITLE'
      Size = 80
    end
    object QDetailDUE: TDateTimeField
      DisplayLabel = 'Due'
      FieldName = 'DUE'
    end
    object QDetailDaysLeft: TIntegerField
      DisplayLabel = 'Days'
      FieldKind = fkCalculated
      FieldName = 'DaysLeft'
      Calculated = True
    end
  end
object SDetail: TDataSource
    DataSet = QDetail
    Left = 64
    Top = 224
  end
    object TBooks: TKVATable
    Connection = DM.LendingDB
    Filter =  
            'SHELF >= '#39'A'#39' and SHELF <= '#39'Z'#39' and WITHDRAWN = 0 and ' +
            'LENDABLE = 1'
    Filtered = True
    DetailFields = 'BOOK_NO'
    MasterFields = 'BOOK_NO'
    MasterSource = SDetail
    TableName = 'BOOKS'
    Left = 104
    Top = 224
    AutoCommit = True
  end
end
