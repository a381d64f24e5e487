object MainForm: TMainForm
  object Q1: TQuery
    DatabaseName = 'sAlEs'
  end
  object Q2: TwwQuery
    DatabaseName = 'Склад'
    Left = 1
  end
  object Q3: TStoredProc
    DatabaseName = 'Quiet'
  end
  object Q4: TQuery
    DatabaseName = 'Nobody'
  end
  object Q5: TQuery
    DatabaseName = 'Sa' + 'les'
  end
  object Q6: TTable
    Top = 2
    DatabaseName = 'Stock'
    ReadOnly = True
  end
end
