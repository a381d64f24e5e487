object Form1: TForm1
  object Q: TQuery
    Active = False
    SQL.Strings = (
      'a'
      'b')
    object F: TField
      Size = 1
    end
  end
  object L: TLabel
  end
end
