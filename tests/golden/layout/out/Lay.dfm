object Form1: TForm1
  object P: TPanel
        object Q1: TKVAQuery
      Filter =  'a' + 'b'
      Tag = 7
      SQL.Strings = ('x'   'y')
      ReadOnly = True
      AfterOpen = Opened
      AutoCommit = True
    end
Caption = 'behind'
  end
    OBJECT q2: TKVATable
    Filter =  
            'first ' +
            'second'
    TableName = 'T'
    AutoCommit = True
  end
  object Q3: TKVAUpdateSQL
  end
object L: TLabel
  end
    object Q4: TKVAQuery
    SQL.Strings = (
            'select'
             
              'a, ' +
              'b'
            'from T')
    AutoCommit = True
  end
end
