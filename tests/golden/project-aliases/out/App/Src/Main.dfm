object MainForm: TMainForm
    object Q1: TKVAQuery
    Connection = DMB.DbB
    AutoCommit = True
  end
  object Q2: TKVAQuery
    Connection = DMA.DbIn
    Left = 1
    AutoCommit = True
  end
  object Q3: TKVAStoredProc
    Connection = QuietForm.DbQ
    AutoCommit = True
  end
  object Q4: TKVAQuery
    AutoCommit = True
  end
  object Q5: TKVAQuery
    AutoCommit = True
  end
  object Q6: TKVATable
    Top = 2
    Connection = DMB.DbS
    ReadOnly = True
    AutoCommit = True
  end
end
