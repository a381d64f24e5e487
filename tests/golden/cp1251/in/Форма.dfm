object Form1: TForm1
  Caption = 'Главный зал'
  object Q: TQuery
    Filter = 'ГОРОД = '#39'Вышков'#39
    object Поле: TStringField
      Size = 1
    end
  end
  object R: TQuery
    Filter = '»'
  end
end
