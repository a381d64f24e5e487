object Form1: TForm1
  Caption = 'Главный зал'
  object Q: TKVAQuery
    Filter = 'ГОРОД = '#39'Вышков'#39
    object Поле: TStringField
      Size = 1
    end
  end
    object R: TKVAQuery
    Filter = '»'
    AutoCommit = True
  end
end
