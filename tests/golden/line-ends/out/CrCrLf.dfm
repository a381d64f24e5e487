object Form1: TForm1
    object Q: TKVAQuery
    Active = False
    SQL.Strings = (
      
            'a'
      
            'b')
    AutoCommit = True
    object F: TField
      Size = 1
    end
  end
object L: TLabel
  end
end
