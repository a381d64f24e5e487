inherited Form2: TForm2
  Left = 1
  inherited Q1: TQuery
    Left = 2
  end
  inline Frame1: TFrame1
    inherited Q2: TTable
      Top = 3
    end
    inherited Q3: TTable [3]
    end
    object Q4: TTable
      Left = 4
    end
  end
  object Q5: TTable
    Left = 5
  end
end
