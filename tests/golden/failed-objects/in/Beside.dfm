object Form1: TForm1
  object Q1: TQuery [3]
    DatabaseName = 'A'
    Left = 1
  end
  object Q2: TTable
    DatabaseName = 'A'
    Color = $00FF00
    object Q3: TUpdateSQL
      Left = 5
    end
    Top = 2
  end
  object Q4: twwquery
    Field = A.B.C
  end
  object Q5: TBatchMove
    Ratio = .5
  end
  object Q6: TStoredProc
    Set = [1, 2]
  end
  object Q7: TDatabase
    Mixed = ('a' 1)
  end
  object Q8: Unit1.TQuery
    Left = 9
  end
end
