object Form1: TForm1
  object P: TPanel
    object Q1: TQuery
      Filter = 'a' + 'b'
      Tag=7
      SQL.Strings=('x'   'y')
      ReadOnly =
        True
      AfterOpen    =    Opened
    end


    Caption = 'behind'
  end
  OBJECT q2:TTable
    Filter = 
      'first ' +
      'second'
    TableName=
      'T'
  END   object Q3
 :
TUpdateSQL end object L: TLabel
  end
  object Q4: TQuery
    SQL.Strings = (
      'select'
       
        'a, ' +
        'b'
      'from T')
  end
end
