object Form1: TForm1
  object Q1: TQuery [3]
    DatabaseName = 'A'
  end
  object TQuery
    Left = 8
  end
end
