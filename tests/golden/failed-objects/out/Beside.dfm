object Form1: TForm1
  object Q1: TKVAQuery [3]
    DatabaseName = 'A'
    Left = 1
  end
  object Q2: TKVATable
    DatabaseName = 'A'
    Color = $00FF00
        object Q3: TKVAUpdateSQL
      Left = 5
    end
Top = 2
  end
  object Q4: TKVAQuery
    Field = A.B.C
  end
  object Q5: THXBatchMove
    Ratio = .5
  end
  object Q6: TKVAStoredProc
    Set = [1, 2]
  end
  object Q7: TKVAConnection
    Mixed = ('a' 1)
  end
  object Q8: Unit1.TQuery
    Left = 9
  end
end
